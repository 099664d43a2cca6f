#include "paint/WholeFile.h"

#include "faults/WholeFileCases.h"

namespace vellix {
namespace {

struct PluginDoor {
    using File = WholeFile;
    static std::unique_ptr<File> Open(const QString& path) { return std::make_unique<File>(path); }
    static bool Write(File& file, const QByteArray& content) { return file.Write(content); }
    static bool Commit(File& file) { return file.Commit(); }
    static QString Fault(const File& file) { return file.Fault(); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Plugin, WholeFileTest, PluginDoor);

} // namespace
} // namespace vellix
