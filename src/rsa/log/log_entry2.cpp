#include "rsa/log/log_entry2.h"

#include "rsa/text/allocate.h"

#include <algorithm>

namespace pavonix {

namespace {

constexpr std::uint32_t kFirstRoom = 8;

} // namespace

LogEntry2::~LogEntry2()
{
    LogEntry2 *entry = this;
    for (;;) {
        if (entry->childCount_ > 0) {
            entry = entry->children_[--entry->childCount_];
        } else if (entry != this) {
            LogEntry2 *done = entry; // has no children any more: its destructor does not recurse
            entry = entry->parent_;
            delete done;
        } else {
            break;
        }
    }
    delete[] children_;
}

bool LogEntry2::MakeRoomForChild()
{
    if (childCount_ < childRoom_) {
        return true;
    }
    const std::uint32_t room = childRoom_ == 0 ? kFirstRoom : childRoom_ * 2;
    LogEntry2 **grown = AllocateArray<LogEntry2 *>(room);
    if (grown == nullptr) {
        return false;
    }
    std::copy_n(children_, childCount_, grown);
    delete[] children_;
    children_ = grown;
    childRoom_ = room;
    return true;
}

bool LogEntry2::AddChild(LogEntry2 *child)
{
    if (!MakeRoomForChild()) {
        return false;
    }
    child->parent_ = this;
    child->position_ = childCount_;
    children_[childCount_++] = child;
    return true;
}

const LogEntry2 *LogEntry2::nextSibling() const
{
    const bool last = parent_ == nullptr || position_ + 1 >= parent_->childCount_;
    return last ? nullptr : parent_->children_[position_ + 1];
}

} // namespace pavonix
