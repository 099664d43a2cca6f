#include "formats/SceneFiles.h"
#include "openmaya/ApiBridge.h"
#include "scene/Host.h"

#include <maya/MFileIO.h>

using lightbox::FileOperation;
using lightbox::Host;

namespace {

bool Runs(FileOperation operation) {
    return Host::Get().files().Running(operation);
}

} // namespace

bool MFileIO::isReadingFile() {
    return Host::Get().files().IsReading();
}
bool MFileIO::isWritingFile() {
    return Host::Get().files().IsWriting();
}
bool MFileIO::isOpeningFile() {
    return Runs(FileOperation::Open);
}
bool MFileIO::isNewingFile() {
    return Runs(FileOperation::New);
}
bool MFileIO::isImportingFile() {
    return Runs(FileOperation::Import);
}
bool MFileIO::isReferencingFile() {
    return Runs(FileOperation::Reference);
}
MString MFileIO::currentFile() {
    return lightbox::ApiBridge::Wrap(Host::Get().files().SceneName());
}
