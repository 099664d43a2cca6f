#include "node/CamerasRead.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace vellix {

TEST(CamerasReadTest, LayersFindTheCameraOfTheirFileByItsNewName) {
    struct Case {
        const char* stored;
        QStringList cameras;
        const char* drawing;
        const char* found;
    };
    const Case cases[] = {
        {"shot", {"shot", "old_shot"}, "vellixShape", "shot"},
        {"shot", {"shot", "file_shot"}, "file_vellixShape", "shot"},
        {"shot", {"file_shot", "other_shot"}, "file_vellixShape", "file_shot"},
        {"shot", {"ns:shot", "other:shot"}, "ns:vellixShape", "ns:shot"},
        {"shot", {"old_shot"}, "vellixShape1", "old_shot"},
        {"shot", {"old_shot", "new_shot"}, "vellixShape1", "shot"},
        {"shot1", {"shot2"}, "vellixShape1", "shot2"},
        {"shot1", {"shot2", "shot3"}, "vellixShape1", "shot1"},
        {"persp", {"old_persp"}, "vellixShape1", "persp"},
        {"persp", {"ns:persp"}, "ns:vellixShape", "ns:persp"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(CamerasRead::NameOf(test.stored, test.cameras, test.drawing).toStdString(), test.found)
            << test.stored << " of " << test.cameras.join(' ').toStdString();
    }
}

} // namespace vellix
