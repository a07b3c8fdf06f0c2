// Benchmarks by interleaved rounds: every contender runs once a round, so that a machine that slows down or
// speeds up meanwhile does so for all of them.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qlx::bench {

/// Seconds that `work` takes once.
template <typename Work>
double Seconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  std::forward<Work>(work)();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Seconds of processor time that `work` takes on this thread: waiting costs nothing.
template <typename Work>
double ThreadSeconds(Work&& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const double start = now();
  std::forward<Work>(work)();
  return now() - start;
}

/// Keeps the optimiser from dropping what is only measured.
inline void Use(const char* bytes) {
  asm volatile("" : : "r"(bytes) : "memory");
}

inline double Median(std::vector<double> figures) {
  std::sort(figures.begin(), figures.end());
  const std::size_t middle = figures.size() / 2;
  return figures.size() % 2 == 1 ? figures[middle] : (figures[middle - 1] + figures[middle]) / 2;
}

/// One comparison. The first contender is the floor that the others are measured against.
class Rounds {
 public:
  /// `unit` is what the contenders return, such as "records/s" or "ms".
  Rounds(std::string title, std::string unit) : title_(std::move(title)), unit_(std::move(unit)) {}

  /// `run` does its work once and returns one figure in the unit.
  Rounds& Add(std::string name, std::function<double()> run) {
    contenders_.push_back({std::move(name), std::move(run), {}});
    return *this;
  }

  /// Runs `rounds` rounds (at least 5) after one round that is not counted, and prints the table.
  void Run(int rounds = 5) {
    if (rounds < 5) throw std::invalid_argument("a median needs at least 5 rounds");
    for (int round = -1; round < rounds; ++round) {
      for (Contender& contender : contenders_) {
        const double figure = contender.run();
        if (round >= 0) contender.figures.push_back(figure);
      }
    }
    Print();
  }

  /// Median over the rounds of `name`'s figure divided by `floor`'s figure of the same round.
  double Ratio(const std::string& name, const std::string& floor) const {
    return Median(Ratios(Find(name), Find(floor)));
  }

  /// Prints one line, "ok" or "MISSED", with the ratio and returns whether it holds.
  bool AtLeast(double bound, const std::string& name, const std::string& floor) const {
    const double ratio = Ratio(name, floor);
    return Judge(ratio >= bound, ratio, "at least", bound, name, floor);
  }
  bool AtMost(double bound, const std::string& name, const std::string& floor) const {
    const double ratio = Ratio(name, floor);
    return Judge(ratio <= bound, ratio, "at most", bound, name, floor);
  }

 private:
  struct Contender {
    std::string name;
    std::function<double()> run;
    std::vector<double> figures;
  };

  const Contender& Find(const std::string& name) const {
    const auto found = std::find_if(contenders_.begin(), contenders_.end(),
                                    [&](const Contender& contender) { return contender.name == name; });
    if (found == contenders_.end()) throw std::invalid_argument("no contender " + name);
    return *found;
  }

  static std::vector<double> Ratios(const Contender& above, const Contender& below) {
    std::vector<double> ratios;
    for (std::size_t round = 0; round < above.figures.size(); ++round)
      ratios.push_back(above.figures[round] / below.figures[round]);
    return ratios;
  }

  void Print() const {
    std::printf("%s (%s, %zu rounds)\n", title_.c_str(), unit_.c_str(), contenders_.front().figures.size());
    std::printf("  %-36s %12s %12s %12s %9s  %s\n", "", "median", "least", "most", "ratio", "least to most");
    for (const Contender& contender : contenders_) Print(contender);
  }

  void Print(const Contender& contender) const {
    const auto [least, most] = std::minmax_element(contender.figures.begin(), contender.figures.end());
    const std::vector<double> ratios = Ratios(contender, contenders_.front());
    const auto [least_ratio, most_ratio] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("  %-36s %12.6g %12.6g %12.6g %8.3fx  %.3fx to %.3fx\n", contender.name.c_str(),
                Median(contender.figures), *least, *most, Median(ratios), *least_ratio, *most_ratio);
  }

  static bool Judge(bool holds, double ratio, const char* sense, double bound, const std::string& name,
                    const std::string& floor) {
    std::printf("  %s: %s is %.3fx of %s, %s %.2fx\n", holds ? "ok" : "MISSED", name.c_str(), ratio,
                floor.c_str(), sense, bound);
    return holds;
  }

  std::string title_;
  std::string unit_;
  std::vector<Contender> contenders_;
};

}  // namespace qlx::bench
