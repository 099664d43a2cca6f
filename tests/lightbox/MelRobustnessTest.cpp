#include "MelFixture.h"

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

namespace {

using lightbox::mel::Error;

/// A script with most of the language in it.
const char* const SCRIPT = R"(
global proc int twice(int $n) { return $n * 2; }
proc string[] letters(string $word) {
    string $out[]; string $parts[];
    tokenize $word " " $parts;
    for ($part in $parts) { $out[size($out)] = ($part + "\n\"" + 1.5e-3); }
    return $out;
}
global string $gMenu; float $f[3] = {1, 2.5, .5}; vector $v = <<1, -2, 3>>; matrix $m[2][2] = <<1, 2; 3, 4>>;
int $i = 0;
while ($i < 4) { if ($i == 2 && !($f[0] > 1)) { $i += 2; continue; } else if ($v.x >= 1) $i++; else break; }
do { $i--; } while ($i > 0);
switch (twice($i)) { case 0: case 1: $gMenu = "a"; break; default: $gMenu += `size $f`; }
string $s = ($i > 1 ? "x" : "y") + $gMenu; $m[1][0] += 5 % 2 ? 1 : 0;
)";

class MelRobustnessTest : public MelFixture {
protected:
    /// Runs a text that may be anything. True when it ended without an error.
    bool Survives(const std::string& text) {
        try {
            Run(text);
            return true;
        } catch (const Error&) {
            return false;
        }
    }
};

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST_F(MelRobustnessTest, BoundsEveryKindOfNesting) {
    constexpr std::size_t deep = 100000;
    const std::string texts[] = {
        Repeated("(", deep),
        Repeated("(", deep) + "1" + Repeated(")", deep),
        Repeated("{", deep),
        Repeated("!", deep) + "1",
        Repeated("-", deep) + "1",
        Repeated("- ", deep) + "1",
        Repeated("`size ", deep),
        Repeated("if (1) ", deep) + ";",
        Repeated("1 ? ", deep) + "1",
        Repeated("$a = ", deep) + "1",
        Repeated("<<", deep),
        Repeated("size(", deep),
        Repeated("1 + ", deep) + "1",
        "int $x[]; " + Repeated("$x[", deep),
        Repeated("while (1) ", deep),
        Repeated("(int)", deep) + "1",
        Repeated("catch(", deep),
        "proc r() { r(); } r()",
        "proc r() { eval(\"r()\"); } r()",
        "proc int a(int $n) { return b($n); } proc int b(int $n) { return a($n) + 1; } a(1)",
        "string $me = \"eval $me\"; eval $me",
    };
    for (const std::string& text : texts) {
        EXPECT_FALSE(Survives(text)) << text.substr(0, 60);
    }
    // What only looks deep is read: texts joined by the thousand, long else-if chains.
    EXPECT_TRUE(Survives("string $t = \"a\"" + Repeated(" + \"b\"", deep) + ";"));
    EXPECT_TRUE(Survives("if (0) ;" + Repeated(" else if (0) ;", deep)));
    EXPECT_EQ(Typed("size($t)"), "int 100001");
    EXPECT_EQ(Typed("proc int down(int $n) { return $n == 0 ? 0 : down($n - 1) + 1; } down(900)"), "int 900");
}

TEST_F(MelRobustnessTest, BoundsWhatATextCanAllocate) {
    EXPECT_EQ(ErrorOf("int $a[]; $a[2000000000] = 1"), "line 1.26: The array is too large.");
    EXPECT_EQ(ErrorOf("string $s[]; $s[200000000] = \"\""), "line 1.28: The array is too large.");
    EXPECT_EQ(ErrorOf("int $b[2000000000];"), "line 1.7: The array is too large.");
    EXPECT_EQ(ErrorOf("matrix $m[100000][100000];"), "line 1.8: The matrix is too large.");
    EXPECT_EQ(ErrorOf("string $t = \"0123456789\"; while (1) $t += $t;"),
              "line 1.40: The string is too long.");
}

TEST_F(MelRobustnessTest, SaysWhereTextsThatDoNotEndBegin) {
    const std::string megabytes(20 * 1024 * 1024, 'x');
    const std::pair<std::string, const char*> texts[] = {
        {"print 1;\n  $s = \"" + megabytes, "line 2.8"},
        {"$a = 1;\n\n/* " + megabytes, "line 3.1"},
        {"$a = 1; `size " + megabytes, "line 1."},
        {"$a = " + std::string(1 << 20, '9'), "none"},
        {"string $t = \"a\\", "line 1.13"},
        {"int $" + megabytes + " = 1; nosuch;", "line 1."},
    };
    for (const auto& [text, place] : texts) {
        const std::string error = ErrorOf(text);
        EXPECT_EQ(error.compare(0, std::string(place).size(), place), 0)
            << text.substr(0, 30) << " gave " << error.substr(0, 200);
        EXPECT_LT(error.size(), 1000U) << "a message that nobody can read";
    }
    EXPECT_EQ(Typed("1 + 1"), "int 2");
}

TEST_F(MelRobustnessTest, CanBeInterrupted) {
    std::atomic<bool> done{false};
    std::thread other([this, &done] {
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            host_.interpreter().Interrupt();
        }
    });
    const std::string error = ErrorOf("while (1) { catch(`size 1`); }");
    done = true;
    other.join();
    EXPECT_NE(error.find("The run was interrupted."), std::string::npos) << error;
    EXPECT_EQ(Typed("1 + 1"), "int 2");
}

/// Scripts cut and changed at random end with an error or not at all differently. A watchdog stops those that
/// have become endless loops.
TEST_F(MelRobustnessTest, SurvivesDamagedScripts) {
    ASSERT_TRUE(Survives(SCRIPT));
    std::atomic<int> generation{0};
    std::atomic<bool> done{false};
    std::thread watchdog([this, &generation, &done] {
        int last = -1;
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            if (generation == last) {
                host_.interpreter().Interrupt();
            }
            last = generation;
        }
    });
    const std::string script = SCRIPT;
    const std::string pieces = "(){}[]<>\"'`$;:,.+-*/%^!=&|? \n\\0a1";
    std::mt19937 random(12345);
    int errors = 0;
    const auto run = [this, &generation, &errors](const std::string& text) {
        ++generation;
        errors += Survives(text) ? 0 : 1;
    };
    for (std::size_t length = 0; length <= script.size(); ++length) {
        run(script.substr(0, length));
    }
    for (int round = 0; round < 3000; ++round) {
        std::string text = script;
        for (unsigned change = 0; change <= random() % 4; ++change) {
            const std::size_t at = random() % text.size();
            switch (random() % 4) {
            case 0:
                text[at] = pieces[random() % pieces.size()];
                break;
            case 1:
                text.insert(at, 1, pieces[random() % pieces.size()]);
                break;
            case 2:
                text.erase(at, 1 + random() % 8);
                break;
            default:
                text[at] = static_cast<char>(random());
            }
        }
        run(text);
    }
    done = true;
    watchdog.join();
    EXPECT_GT(errors, 1000);
    EXPECT_EQ(Typed("1 + 1"), "int 2");
}

} // namespace
