#include "sim/options.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace qlx::sim {
namespace {

struct Departure {
  const char* flag;
  const char* help;
  bool UnitBehaviour::*member;
};

constexpr Departure kDepartures[] = {
    {"--stopped", "the service does not run at the beginning", &UnitBehaviour::stopped},
    {"--missing", "the manager knows no such service", &UnitBehaviour::missing},
    {"--refuse-stop", "a request to stop is denied", &UnitBehaviour::refuse_stop},
    {"--refuse-start", "a request to start is denied", &UnitBehaviour::refuse_start},
    {"--hang-stopping", "once asked to stop, it stays deactivating", &UnitBehaviour::hang_stopping},
    {"--hang-starting", "once asked to start, it stays activating", &UnitBehaviour::hang_starting},
    {"--fail-stop", "a stop ends in the state failed", &UnitBehaviour::fail_stop},
    {"--fail-start", "a start goes straight to the state failed", &UnitBehaviour::fail_start},
    {"--lose-bus", "a request to stop ends the bus", &UnitBehaviour::lose_bus},
};

struct Duration {
  const char* flag;
  const char* help;
  std::chrono::milliseconds UnitBehaviour::*member;
};

constexpr Duration kDurations[] = {
    {"--start-takes", "milliseconds that every service is activating", &UnitBehaviour::start_takes},
    {"--stop-takes", "milliseconds that every service is deactivating", &UnitBehaviour::stop_takes},
};

std::string CheckPortName(const std::string& name) {
  const bool good = name.starts_with("COM") && name.size() > 3 && name.size() <= 8 &&
                    name.find_first_not_of("0123456789", 3) == std::string::npos;
  return good ? "" : name + " is no port name: COM3";
}

void AddPorts(CLI::App& app, SuiteOptions& options) {
  const auto set = [&options](const std::vector<std::string>& names) {
    options.ports.clear();
    for (const std::string& name : names) {
      if (std::ranges::find(options.ports, name) == options.ports.end()) options.ports.push_back(name);
    }
  };
  app.add_option_function<std::vector<std::string>>("--ports", set,
                                                    "virtual ports; default: COM3 to COM10, joined by commas")
      ->type_name("COM<n>")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->check(CheckPortName);
}

void AddPrinter(CLI::App& app, SuiteOptions& options) {
  std::vector<std::string> names;
  for (const DescribedPrinter& printer : kDescribedPrinters) names.emplace_back(printer.name);
  const auto set = [&options](const std::string& name) { options.printer = FindDescribedPrinter(name); };
  app.add_option_function<std::string>("--printer", set, "the receipt printer; default: " + names.front())
      ->type_name("NAME")
      ->check(CLI::IsMember(names));
}

}  // namespace

void AddOptions(CLI::App& app, SuiteOptions& options) {
  app.add_option("--config", options.configuration, "the suite's configuration file; may come later");
  app.add_option("--dir", options.directory, "directory for sockets, ports and the file 'environment'");
  app.add_option("--log-dir", options.log_directory,
                 "directory of the suite's log file and of the receipts; default: --dir");
  AddPorts(app, options);
  AddPrinter(app, options);
  app.add_flag("--never-answer", options.never_answer, "the service manager answers no call");
  for (const Departure& departure : kDepartures) {
    const auto set = [&options, &departure](const std::vector<std::string>& names) {
      for (const std::string& name : names) options.behaviours.at(name).*departure.member = true;
    };
    app.add_option_function<std::vector<std::string>>(departure.flag, set, departure.help)
        ->type_name("SERVICE")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"QLXSVC", "QLXLOGSVC"}));
  }
  for (const Duration& duration : kDurations) {
    const auto set = [&options, &duration](const int& count) {
      for (auto& behaviour : options.behaviours)
        behaviour.second.*duration.member = std::chrono::milliseconds(count);
    };
    app.add_option_function<int>(duration.flag, set, duration.help)->check(CLI::Range(0, 3'600'000));
  }
}

std::string ControlOptions::Command() const {
  std::string command;
  for (const std::string& word : words) command += (command.empty() ? "" : " ") + word;
  return command;
}

void AddControlOptions(CLI::App& app, ControlOptions& options) {
  auto* control =
      app.add_option("--control", options.socket, "give COMMAND to the simulator of this control socket");
  app.add_option("COMMAND", options.words, "such as swipe; help lists them all")->needs(control);
  app.final_callback([&app, &options] {
    if (options.socket.empty() && (app.count("--config") == 0 || app.count("--dir") == 0)) {
      throw CLI::RequiredError("--config and --dir");
    }
    if (!options.socket.empty() && options.words.empty()) throw CLI::RequiredError("COMMAND");
  });
}

}  // namespace qlx::sim
