#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lightbox::mel {

/// The current project: a root folder, and rules that name the folders of kinds of files below it. The rules
/// stand in the file workspace.mel of the root folder, in lines like `workspace -fr "images" "images";`.
class Workspace {
public:
    enum class Table { FileRule, Variable, RenderType, ObjectType };
    using Entries = std::map<std::string, std::string>;

    /// The absolute path of the root folder, without a slash at its end. The working folder, as long as no
    /// project was opened.
    std::string Root() const;
    /// The name of the root folder.
    std::string ShortName() const;
    /// A path as an absolute one; a relative path begins at the root.
    std::string Expanded(const std::string& path) const;
    /// A path as it is seen from the root; as given when it is not below it.
    std::string BelowRoot(const std::string& path) const;

    Entries& In(Table table) { return tables_[static_cast<std::size_t>(table)]; }

    /// Makes a folder the root and the working folder, and reads its rules. Returns why that failed, or an
    /// empty string; then nothing changed.
    std::string Open(const std::string& folder);
    /// The same for a new project, whose folder is made if it is missing. Its rules are those of `base`, the
    /// root folder of another project, or none when that is empty.
    std::string Create(const std::string& folder, const std::string& base);
    /// Reads the rules again.
    std::string Update();
    /// Writes the rules. Lines of the file that are not rules stay.
    std::string Save() const;

    /// The roots of the projects that were opened, in the order of their names.
    const std::vector<std::string>& Known() const { return known_; }

private:
    struct Content {
        std::array<Entries, 4> tables;
        /// The lines of the file that are not rules.
        std::string rest;
    };
    /// Null when the file is there but cannot be read; then `fault` tells why.
    static std::optional<Content> Read(const std::string& folder, std::string& fault);
    void Adopt(const std::string& folder, const Content& content);

    /// Empty while no project was opened.
    std::string root_;
    std::array<Entries, 4> tables_;
    std::string rest_;
    std::vector<std::string> known_;
};

} // namespace lightbox::mel
