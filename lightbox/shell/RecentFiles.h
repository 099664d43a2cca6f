#pragma once

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace lightbox {

class Host;

/// The list of recently opened and saved scenes. It is stored in the option variable RecentFilesList, which
/// scripts also read, with the latest last.
class RecentFiles : public QObject {
    Q_OBJECT
public:
    /// Adds every scene that is opened or saved from now on.
    explicit RecentFiles(Host& host, QObject* parent = nullptr);
    ~RecentFiles() override;

    /// The latest first.
    QStringList List() const;
    void Add(const QString& path);
    void Clear();

Q_SIGNALS:
    void Changed();

private:
    Host& host_;
    std::vector<std::intptr_t> callbacks_;
};

} // namespace lightbox
