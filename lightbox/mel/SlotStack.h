#pragma once

#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace lightbox::mel {

/// Storage for the local variables of running procedures, in blocks that never move.
class SlotStack {
public:
    /// The variables of one call. The destructor clears them.
    class Slots : NonCopyable {
    public:
        Slots(SlotStack& stack, std::size_t count)
            : stack_(stack)
            , count_(count)
            , block_(stack.block_)
            , used_(stack.used_)
            , values_(stack.Take(count)) {}
        ~Slots() {
            for (std::size_t i = 0; i < count_; ++i) {
                values_[i] = Value();
            }
            stack_.block_ = block_;
            stack_.used_ = used_;
        }

        Value* Get() const { return values_; }

    private:
        SlotStack& stack_;
        std::size_t count_;
        /// The end of the stack before this call.
        std::size_t block_;
        std::size_t used_;
        Value* values_;
    };

private:
    struct Block {
        std::unique_ptr<Value[]> values;
        std::size_t size = 0;
    };
    static constexpr std::size_t BLOCK_SIZE = 1024;

    Value* Take(std::size_t count) {
        if (blocks_.empty() || used_ + count > blocks_[block_].size) {
            block_ += blocks_.empty() ? 0 : 1;
            used_ = 0;
            if (block_ == blocks_.size() || blocks_[block_].size < count) {
                const std::size_t size = count > BLOCK_SIZE ? count : BLOCK_SIZE;
                // Later blocks are unused; only blocks in use must not move.
                blocks_.resize(block_);
                blocks_.push_back({std::make_unique<Value[]>(size), size});
            }
        }
        Value* const values = blocks_[block_].values.get() + used_;
        used_ += count;
        return values;
    }

    std::vector<Block> blocks_;
    std::size_t block_ = 0;
    std::size_t used_ = 0;
};

} // namespace lightbox::mel
