#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/ReferenceList.h"
#include "formats/SceneFiles.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <QFileInfo>

#include <optional>

namespace lightbox::mel {
namespace {

SceneFiles& Files(const CommandCall& call) {
    return call.GetHost().files();
}

std::string PathArgument(const CommandCall& call) {
    if (call.Objects().empty() || call.Object(0).AsString().empty()) {
        call.Fail("No file name specified.");
    }
    return call.Object(0).AsString();
}

std::string FileName(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).fileName().toStdString();
}

/// Returns a path for a query: the whole path, or only the file name with -shortName.
std::string ShownPath(const CommandCall& call, const std::string& path) {
    return call.Has("-shortName") ? FileName(path) : path;
}

const FileReference& ReferenceArgument(const CommandCall& call, const std::string& nameOrPath) {
    const ReferenceList& references = Files(call).references();
    const FileReference* reference = references.Find(nameOrPath);
    if (!reference) {
        reference = references.Find(SceneFiles::FindFile(nameOrPath));
    }
    if (!reference) {
        call.Fail("There is no reference \"" + nameOrPath + "\".");
    }
    return *reference;
}

Value ReferencePaths(const CommandCall& call) {
    Value::StringArray paths;
    for (const FileReference& reference : Files(call).references().All()) {
        if (reference.parent.empty()) {
            paths.push_back(ShownPath(call, reference.path));
        }
    }
    return paths;
}

Value QueryReference(const CommandCall& call) {
    if (call.Has("-reference") && call.Objects().empty()) {
        return ReferencePaths(call);
    }
    const FileReference& reference = ReferenceArgument(call, PathArgument(call));
    if (call.Has("-referenceNode")) {
        return reference.name;
    }
    if (call.Has("-namespace")) {
        return reference.nameSpace;
    }
    if (call.Has("-deferReference")) {
        return !reference.isLoaded;
    }
    return ShownPath(call, reference.path);
}

Value QueryFile(const CommandCall& call) {
    const SceneFiles& files = Files(call);
    for (const char* flag : {"-reference", "-referenceNode", "-namespace", "-deferReference"}) {
        if (call.Has(flag)) {
            return QueryReference(call);
        }
    }
    if (call.Has("-modified") || call.Has("-anyModified")) {
        return files.IsModified();
    }
    if (call.Has("-type")) {
        const std::string path =
            call.Objects().empty() ? files.SceneName() : SceneFiles::FindFile(PathArgument(call));
        return Value::StringArray{SceneFiles::FormatName(SceneFiles::FormatOf(path, files.Format()))};
    }
    if (call.Has("-exists")) {
        return QFileInfo(QString::fromStdString(SceneFiles::FindFile(PathArgument(call)))).isFile();
    }
    if (call.Has("-expandName") || call.Has("-location") || call.Has("-withoutCopyNumber")) {
        if (!call.Objects().empty()) {
            return ShownPath(call, SceneFiles::FindFile(PathArgument(call)));
        }
        return files.SceneName().empty() ? Value("unknown") : Value(ShownPath(call, files.SceneName()));
    }
    if (call.Has("-list")) {
        Value::StringArray paths;
        if (!files.SceneName().empty()) {
            paths.push_back(ShownPath(call, files.SceneName()));
        }
        for (const FileReference& reference : files.references().All()) {
            paths.push_back(ShownPath(call, reference.path));
        }
        return paths;
    }
    if (call.Has("-sceneName")) {
        return ShownPath(call, files.SceneName());
    }
    call.Fail("Nothing was asked for.");
}

SceneFormat FormatArgument(const CommandCall& call, const std::string& path) {
    SceneFormat format = SceneFiles::FormatOf(path, Files(call).Format());
    if (call.Has("-type") && !SceneFiles::ParseFormatName(call.String("-type"), format)) {
        call.Fail("Scenes cannot be written as \"" + call.String("-type") +
                  "\"; use \"mayaAscii\" or \"lightboxBinary\".");
    }
    return format;
}

Value NamesOrPath(const CommandCall& call, const NodeList& nodes, const std::string& path) {
    return call.Has("-returnNewNodes") ? ShownNames(nodes, true) : Value(path);
}

bool IsOn(const CommandCall& call, const char* flag) {
    return call.Has(flag) && call.Bool(flag);
}

/// Returns the namespace for an import. Without merging, an existing name gets a number.
std::string ImportNamespace(const CommandCall& call) {
    const std::string given = call.StringOr("-namespace", "");
    std::string name = given == ":" ? std::string() : given;
    const bool isMerged = !call.Has("-mergeNamespacesOnClash") || call.Bool("-mergeNamespacesOnClash");
    const auto& taken = call.GetHost().scene().Namespaces();
    for (int number = 1; !isMerged && !name.empty() && taken.count(name) > 0; ++number) {
        name = given + std::to_string(number);
    }
    return name;
}

Value ImportFile(const CommandCall& call) {
    const std::string path = PathArgument(call);
    const std::string nameSpace = ImportNamespace(call);
    if (IsOn(call, "-renameAll") && nameSpace.empty()) {
        call.Fail("-renameAll needs a namespace: use -namespace.");
    }
    const NodeList nodes = Files(call).Import(path, nameSpace);
    return NamesOrPath(call, nodes, SceneFiles::FindFile(path));
}

Value CreateReference(const CommandCall& call) {
    const bool isDeferred = IsOn(call, "-deferReference");
    const std::string name = Files(call).AddReference(PathArgument(call), call.StringOr("-namespace", ""),
                                                      call.StringOr("-referenceNode", ""), isDeferred);
    const ReferenceList& references = Files(call).references();
    return NamesOrPath(call, references.NodesOf(name), references.Find(name)->path);
}

Value ChangeReference(const CommandCall& call) {
    ReferenceList& references = Files(call).references();
    const auto name = [&](const char* flag) {
        const std::string given = call.StringOr(flag, "");
        return ReferenceArgument(call, given.empty() ? PathArgument(call) : given).name;
    };
    if (call.Has("-loadReference")) {
        references.Load(name("-loadReference"));
        return references.Find(name("-loadReference"))->path;
    }
    if (call.Has("-unloadReference")) {
        references.Unload(name("-unloadReference"));
    } else if (call.Has("-importReference")) {
        references.MakeLocal(name("-referenceNode"));
    } else {
        references.Remove(name("-referenceNode"));
    }
    Files(call).SetModified(true);
    return {};
}

Value Export(const CommandCall& call) {
    const std::string path = PathArgument(call);
    const SceneFormat format = FormatArgument(call, path);
    std::string file = SceneFiles::AbsolutePath(path);
    if (QFileInfo(QString::fromStdString(file)).suffix().isEmpty()) {
        file += format == SceneFormat::MayaAscii ? ".ma" : ".lbx";
    }
    if (call.Has("-exportSelected")) {
        const NodeList& selected = call.GetHost().scene().selection().Get();
        if (selected.empty()) {
            call.Fail("Nothing is selected to export.");
        }
        Files(call).ExportNodes(file, format, selected, call.Has("-force"));
    } else {
        Files(call).ExportAll(file, format, call.Has("-force"));
    }
    return file;
}

Value SaveAs(const CommandCall& call) {
    const std::string& path = call.String("-rename");
    std::optional<SceneFormat> format;
    if (call.Has("-type")) {
        format = FormatArgument(call, path);
    }
    Files(call).SaveAs(path, format, call.Has("-force"));
    return Files(call).SceneName();
}

Value File(CommandCall& call) {
    SceneFiles& files = Files(call);
    const bool isForced = call.Has("-force");
    if (call.IsQuery()) {
        return QueryFile(call);
    }
    if (call.Has("-renamingPrefix")) {
        call.Fail("Prefixes are not supported; use -namespace.");
    }
    if (call.Has("-newFile")) {
        files.New(isForced);
        return "";
    }
    if (call.Has("-open")) {
        files.Open(PathArgument(call), isForced);
        return files.SceneName();
    }
    if (call.Has("-import")) {
        return ImportFile(call);
    }
    if (call.Has("-exportAll") || call.Has("-exportSelected")) {
        return Export(call);
    }
    for (const char* flag : {"-loadReference", "-unloadReference", "-importReference", "-removeReference"}) {
        if (call.Has(flag)) {
            return ChangeReference(call);
        }
    }
    if (call.Has("-reference")) {
        return CreateReference(call);
    }
    if (call.Has("-rename") && call.Has("-save")) {
        return SaveAs(call);
    }
    if (call.Has("-rename")) {
        files.Rename(call.String("-rename"));
    }
    if (call.Has("-type")) {
        files.SetFormat(FormatArgument(call, files.SceneName()));
    }
    if (call.Has("-modified")) {
        files.SetModified(call.Bool("-modified"));
    }
    if (call.Has("-save")) {
        files.Save(isForced);
    }
    return files.SceneName();
}

} // namespace

void RegisterFileCommand(CommandRegistry& registry) {
    registry.Register("file",
                      SyntaxBuilder()
                          .Flag("-new", "-newFile")
                          .Flag("-o", "-open")
                          .Flag("-s", "-save")
                          .Flag("-rn", "-rename", TEXT)
                          .Flag("-typ", "-type", TEXT)
                          .Flag("-i", "-import")
                          .Flag("-r", "-reference")
                          .Flag("-rdi", "-referenceDepthInfo", MSyntax::kLong)
                          .Flag("-ns", "-namespace", TEXT)
                          .Flag("-rfn", "-referenceNode", TEXT)
                          .Flag("-dr", "-deferReference", SWITCH)
                          .Flag("-lr", "-loadReference", TEXT)
                          .Flag("-ur", "-unloadReference", TEXT)
                          .Flag("-rr", "-removeReference")
                          .Flag("-ir", "-importReference")
                          .Flag("-ea", "-exportAll")
                          .Flag("-es", "-exportSelected")
                          .Flag("-f", "-force")
                          .Flag("-op", "-options", TEXT)
                          .Flag("-iv", "-ignoreVersion")
                          .Flag("-pmt", "-prompt", SWITCH)
                          .Flag("-mnc", "-mergeNamespacesOnClash", SWITCH)
                          .Flag("-ra", "-renameAll", SWITCH)
                          .Flag("-rpr", "-renamingPrefix", TEXT)
                          .Flag("-shd", "-sharedNodes", TEXT)
                          .MultiUse()
                          .Flag("-rnn", "-returnNewNodes")
                          .Flag("-pr", "-preserveReferences")
                          .Flag("-mf", "-modified", SWITCH)
                          .Flag("-amf", "-anyModified")
                          .Flag("-sn", "-sceneName")
                          .Flag("-shn", "-shortName")
                          .Flag("-exn", "-expandName")
                          .Flag("-loc", "-location")
                          .Flag("-wcn", "-withoutCopyNumber")
                          .Flag("-ex", "-exists")
                          .Flag("-l", "-list")
                          .Query()
                          .Objects(0, 1),
                      File);
}

} // namespace lightbox::mel
