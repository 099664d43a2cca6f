#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>

#include <gtest/gtest.h>
#include <zip.h>

namespace vellix {

/// An archive as another program reads it.
class ReadArchive {
public:
    explicit ReadArchive(const QString& path)
        : zip_(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr)) {}
    ReadArchive(const ReadArchive&) = delete;
    ReadArchive& operator=(const ReadArchive&) = delete;
    ~ReadArchive() { zip_discard(zip_); }

    QStringList Names() const {
        QStringList names;
        for (zip_int64_t i = 0; zip_ && i < zip_get_num_entries(zip_, 0); ++i) {
            names.append(QString::fromUtf8(zip_get_name(zip_, zip_uint64_t(i), ZIP_FL_ENC_GUESS)));
        }
        return names;
    }
    /// What a member holds; nothing if there is no such member.
    QByteArray Read(const QString& name) const {
        zip_stat_t status;
        if (!zip_ || zip_stat(zip_, name.toUtf8().constData(), 0, &status) != 0) {
            return QByteArray();
        }
        zip_file_t* const file = zip_fopen(zip_, name.toUtf8().constData(), 0);
        if (!file) {
            return QByteArray();
        }
        QByteArray bytes(int(status.size), '\0');
        EXPECT_EQ(zip_fread(file, bytes.data(), status.size), zip_int64_t(status.size));
        EXPECT_EQ(zip_fclose(file), 0) << "the checksum";
        return bytes;
    }
    /// The attributes of all elements of this name, in order.
    QVector<QXmlStreamAttributes> Elements(const QString& member, const QString& element) const {
        QVector<QXmlStreamAttributes> found;
        QXmlStreamReader xml(Read(member));
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == element) {
                found.append(xml.attributes());
            }
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        return found;
    }

private:
    zip_t* zip_;
};

} // namespace vellix
