#include "apps/kvo/Progress.h"

#include "apps/kvo/Terminal.h"

namespace kvo {
namespace {

using Seconds = std::chrono::duration<double>;

// Returns ", about 40 s left".
std::string TimeLeft(Seconds spent, std::int64_t finished, std::int64_t total) {
  if (finished <= 0 || total <= finished) return {};
  const double left =
      spent.count() / static_cast<double>(finished) * static_cast<double>(total - finished);
  constexpr double kMinutesFrom = 120;
  const bool minutes = left >= kMinutesFrom;
  const auto count = static_cast<std::int64_t>(minutes ? left / 60 + 0.5 : left + 1);
  return Say({", noch etwa {} {}", ", about {} {} left"},
             {std::to_string(count), minutes ? "min" : "s"});
}

}  // namespace

void Progress::Finished(std::size_t pages) {
  const auto finished = static_cast<std::int64_t>(pages);
  Show(finished, finished, Say({" Seiten", " pages"}));
}

void Progress::Show(std::int64_t finished, std::int64_t shown, const std::string& what) {
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + (IsStatusRewritten() ? std::chrono::milliseconds(200) : std::chrono::seconds(5));
  const std::int64_t total = total_();
  ShowStatus(Say({"kvo: {} von {}{}{}", "kvo: {} of {}{}{}"},
                 {std::to_string(shown), std::to_string(total), what,
                  TimeLeft(now - begun_, finished, total)}));
}

}  // namespace kvo
