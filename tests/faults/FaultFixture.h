#pragma once

#include "mel/Value.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {
class LightboxHost;
}

/// Sets a variable of the environment for as long as it exists.
class Environment {
public:
    Environment(const char* name, const QByteArray& value)
        : name_(name) {
        qputenv(name, value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { qunsetenv(name_); }

private:
    const char* name_;
};

/// Whether everything is to be tried, not a sample of it.
inline bool IsLongRun() {
    return qEnvironmentVariableIsSet("VELLIX_LONG");
}

/// A host without a window, with the plug-in, in a temporary folder. A disk that is full, or is going to be,
/// is made with FullDisk.cpp, which stands in this program.
class FaultFixture : public ::testing::Test {
protected:
    FaultFixture();
    ~FaultFixture() override;

    /// Runs MEL. Returns false after an error.
    bool Run(const QString& mel);
    /// The same; the result, or "<failed>".
    QString Ask(const QString& mel);
    /// Whether an error or a warning was reported since the last call.
    bool TakesErrors();
    std::string Messages() const;
    /// Draws a new line on each of these frames of persp.
    void Draw(int frames, int first = 1);

    QString Path(const QString& name) const { return folder_.filePath("work/" + name); }
    QByteArray Read(const QString& name) const;
    void Write(const QString& name, const QByteArray& content) const;
    /// The names in the folder, sorted, with blanks between them.
    QString Names() const;

    QTemporaryDir folder_; ///< holds the preferences and the folder "work"

private:
    std::vector<std::string> errors_;
    int drawn_ = 0;

protected:
    std::unique_ptr<lightbox::LightboxHost> host_; ///< ends first: it still reports errors then
};

/// A Maya ASCII scene without the line that tells when it was saved.
QByteArray WithoutTime(const QByteArray& scene);
