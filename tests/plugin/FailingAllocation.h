#pragma once

namespace vellix {

/// Makes one allocation of the plug-in fail while it exists: the n-th on this thread that its code asks for,
/// directly or through Qt and the standard library. Those of the host do not count. At most one at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(int number);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether the allocation was asked for, and failed.
    static bool HasFailed();
    /// The number of allocations that were asked for while the last one existed.
    static int Count();
    /// False where the program's allocation cannot be replaced, as under the sanitizers.
    static bool IsPossible();

    /// While one exists, allocations neither fail nor count: for what a test does in the middle.
    class Pause {
    public:
        Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
        ~Pause();

    private:
        bool before_;
    };
};

} // namespace vellix
