#include "scene/WholeFile.h"

#include "faults/WholeFileCases.h"

namespace lightbox {
namespace {

struct LightboxDoor {
    using File = WholeFile;
    static std::unique_ptr<File> Open(const QString& path) {
        return std::make_unique<File>(path.toStdString());
    }
    static bool Write(File& file, const QByteArray& content) {
        return file.Write(content.constData(), static_cast<std::size_t>(content.size()));
    }
    static bool Commit(File& file) { return file.Commit(); }
    static QString Fault(const File& file) { return QString::fromStdString(file.Fault()); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Lightbox, WholeFileTest, LightboxDoor);

} // namespace
} // namespace lightbox
