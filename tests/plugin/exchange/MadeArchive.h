#pragma once

#include "paint/PngCodec.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QString>

#include <gtest/gtest.h>
#include <initializer_list>
#include <utility>
#include <vector>
#include <zip.h>

namespace vellix {

/// A ZIP archive made by libzip, whole or with a fault.
class MadeArchive {
public:
    struct Member {
        QString name;
        QByteArray content;
        bool isEncrypted = false;
    };

    MadeArchive(std::initializer_list<Member> members)
        : members_(members) {}
    static MadeArchive Of(std::vector<Member> members) {
        MadeArchive archive({});
        archive.members_ = std::move(members);
        return archive;
    }

    QByteArray Bytes() const {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* const target = zip_source_buffer_create(nullptr, 0, 0, &error);
        zip_t* const archive = zip_open_from_source(target, ZIP_TRUNCATE, &error);
        zip_source_keep(target);
        for (const Member& member : members_) {
            const auto size = static_cast<zip_uint64_t>(member.content.size());
            zip_source_t* const source = zip_source_buffer(archive, member.content.constData(), size, 0);
            const zip_int64_t index =
                zip_file_add(archive, member.name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
            EXPECT_GE(index, 0) << zip_strerror(archive);
            if (member.isEncrypted) {
                zip_file_set_encryption(archive, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256, "secret");
            }
        }
        EXPECT_EQ(zip_close(archive), 0) << zip_strerror(archive);
        zip_stat_t stat;
        zip_source_stat(target, &stat);
        QByteArray bytes(static_cast<int>(stat.size), 0);
        zip_source_open(target);
        zip_source_read(target, bytes.data(), stat.size);
        zip_source_close(target);
        zip_source_free(target);
        return bytes;
    }

    /// A PNG of one colour.
    static QByteArray Png(int width, int height, const QColor& color) {
        QImage image(width, height, QImage::Format_RGBA8888);
        image.fill(color);
        QByteArray png;
        EXPECT_TRUE(PngCodec::Encode(image, png));
        return png;
    }

    /// An OpenRaster file with these rows in its stack.
    static MadeArchive OpenRaster(const QString& rows, std::vector<Member> members, int width = 1024,
                                  int height = 1024) {
        members.insert(members.begin(), {"mimetype", "image/openraster"});
        members.push_back(
            {"stack.xml",
             QString("<?xml version='1.0' encoding='UTF-8'?><image version=\"0.0.5\" w=\"%1\" h=\"%2\">"
                     "<stack>%3</stack></image>")
                 .arg(width)
                 .arg(height)
                 .arg(rows)
                 .toUtf8()});
        return Of(members);
    }
    /// An animation of Pencil2D with these layers.
    static MadeArchive Pencil2d(const QString& layers, std::vector<Member> members, int width = 1024,
                                int height = 1024) {
        members.push_back(
            {"main.xml",
             QString("<!DOCTYPE PencilDocument><document><projectdata><fps value=\"24\"/></projectdata>"
                     "<object><layer id=\"1\" name=\"Camera Layer\" visibility=\"1\" type=\"5\" "
                     "width=\"%1\" height=\"%2\"><camera frame=\"1\" r=\"0\" s=\"1\" dx=\"0\" dy=\"0\"/>"
                     "</layer>%3</object></document>")
                 .arg(width)
                 .arg(height)
                 .arg(layers)
                 .toUtf8()});
        return Of(members);
    }

private:
    std::vector<Member> members_;
};

} // namespace vellix
