#include "formats/FileOperation.h"

#include "formats/SceneFiles.h"
#include "scene/EventBus.h"
#include "scene/Host.h"

namespace lightbox {

FileOperationScope::FileOperationScope(Host& host, FileOperation operation)
    : host_(host) {
    host_.files().operations_.push_back(operation);
    UpdateConditions();
}

FileOperationScope::~FileOperationScope() {
    host_.files().operations_.pop_back();
    UpdateConditions();
}

void FileOperationScope::UpdateConditions() {
    const SceneFiles& files = host_.files();
    EventBus& events = host_.events();
    events.SetCondition("readingFile", files.IsReading());
    events.SetCondition("writingFile", files.IsWriting());
    events.SetCondition("opening", files.Running(FileOperation::Open));
    events.SetCondition("newing", files.Running(FileOperation::New));
}

} // namespace lightbox
