// Work on all cores whose results are taken in order.
#pragma once

#include <cstddef>
#include <functional>

namespace kvo {

struct Turns {
  // Does one piece; on any core and in any order. Must not throw.
  std::function<void(std::size_t index)> work;
  // Takes finished pieces [begin, end); on the calling thread and in order.
  std::function<void(std::size_t begin, std::size_t end)> take;
  // Called several times a second on the calling thread, with the number of finished pieces.
  std::function<void(std::size_t finished)> tick;
  // How far the work may be ahead of what was taken.
  std::size_t window;
};

// Runs `count` pieces and returns how many were taken: all of them, unless StopSignal() came. Then
// begins no new piece and takes those that are finished, without a gap. Ends the work when `take`
// throws.
std::size_t RunInTurns(std::size_t count, const Turns& turns);

}  // namespace kvo
