#include "faults/InterleavingWalk.h"

#include <cstdlib>
#include <iostream>

namespace vellix {
namespace {

/// The environment says how long it goes: VELLIX_WALK_STEPS and VELLIX_WALK_SEED, and VELLIX_WALK_SEEDS for
/// as many ways one after the other.
class InterleavingWalkTest : public InterleavingWalk {
protected:
    static unsigned Wanted(const char* name, unsigned usual) {
        const char* const text = std::getenv(name);
        return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
    }
    void Report(unsigned seed, const Outcome& found, const Outcome& shortest) {
        std::string way;
        for (std::size_t i = 0; i < shortest.said.size(); ++i) {
            way += "  " + std::to_string(i + 1) + " " + shortest.said[i] + "\n";
        }
        ADD_FAILURE() << "seed " << seed << ", step " << found.steps << ": " << found.fault
                      << "\nThe shortest way there found (" << shortest.fault << "):\n"
                      << way;
    }
};

TEST_F(InterleavingWalkTest, NoPictureDisappearsThatNoStepRemoved) {
    const unsigned first = Wanted("VELLIX_WALK_SEED", 1);
    const unsigned seeds = Wanted("VELLIX_WALK_SEEDS", 1);
    const unsigned steps = Wanted("VELLIX_WALK_STEPS", 2000);
    goesOn_ = Wanted("VELLIX_WALK_GOES_ON", 0) != 0;
    for (unsigned seed = first; seed < first + seeds; ++seed) {
        const std::vector<Step> way = RandomSteps(seed, steps);
        const Outcome outcome = Walk(way);
        for (const auto& [kind, times] : outcome.faults) {
            std::cout << "seed " << seed << ": " << times << " x " << kind << std::endl;
        }
        if (!outcome.fault.empty() && !goesOn_) {
            Report(seed, outcome,
                   Shorten(way, outcome, static_cast<int>(Wanted("VELLIX_WALK_SHORTEN", 100))));
        }
        EXPECT_TRUE(outcome.faults.empty());
        if (seeds > 1) {
            std::cout << "seed " << seed << ": " << outcome.steps << " steps" << std::endl;
        }
    }
}

} // namespace
} // namespace vellix
