// SmallStack.h - runs a piece of a test on a thread with a stack of a chosen size, as the
// library meets it on a caller's thread.
#pragma once

#include <cstddef>
#include <functional>

namespace qent::test {

// Runs `task` on a new thread with a `bytes` stack and waits for it; an exception the task
// throws is rethrown here. A stack overflow in the task ends the test program, which is the
// failure it exists to show, so keep GoogleTest assertions out of the task.
void runWithStack(std::size_t bytes, const std::function<void()>& task);

}  // namespace qent::test
