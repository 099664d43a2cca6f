#pragma once

#include <QByteArray>
#include <QString>

/// Makes writing below a folder fail in this program while it lives, with faults/FullDisk.cpp, which has to
/// be compiled into the program.
class DiskFault {
public:
    /// The disk takes so many bytes.
    static DiskFault Full(const QString& folder, int bytes) {
        static int run = 0; // the same limit twice starts anew
        return {folder, "VELLIX_FAULT_BYTES",
                QByteArray::number(bytes) + " run " + QByteArray::number(++run)};
    }
    static DiskFault Sync(const QString& folder) { return {folder, "VELLIX_FAULT_FSYNC", "1"}; }
    static DiskFault Rename(const QString& folder) { return {folder, "VELLIX_FAULT_RENAME", "1"}; }

    DiskFault(const DiskFault&) = delete;
    DiskFault& operator=(const DiskFault&) = delete;
    ~DiskFault() {
        qunsetenv(variable_);
        qunsetenv("VELLIX_FAULT_FOLDER");
    }

private:
    DiskFault(const QString& folder, const char* variable, const QByteArray& value)
        : variable_(variable) {
        qputenv("VELLIX_FAULT_FOLDER", folder.toLocal8Bit());
        qputenv(variable, value);
    }

    const char* variable_;
};
