#pragma once

#include <functional>

#include "Failure.h"
#include "Settings.h"

namespace CLI {
class App;
}

namespace Tool {

/// Runs the command that the command line chose.
using Action = std::function<ExitStatus()>;

// Each adds a command, with its options, to the program; parsing it sets `chosen`. The settings are read
// when the action runs, not before.

void defineInit(CLI::App& program, const Settings& settings, Action& chosen);
void defineImport(CLI::App& program, const Settings& settings, Action& chosen);
void defineAdd(CLI::App& program, const Settings& settings, Action& chosen);
void defineEdit(CLI::App& program, const Settings& settings, Action& chosen);
void defineDelete(CLI::App& program, const Settings& settings, Action& chosen);
void defineExport(CLI::App& program, const Settings& settings, Action& chosen);
void defineShow(CLI::App& program, const Settings& settings, Action& chosen);
void defineList(CLI::App& program, const Settings& settings, Action& chosen);
void defineSearch(CLI::App& program, const Settings& settings, Action& chosen);
void defineNumber(CLI::App& program, const Settings& settings, Action& chosen);
void defineIdentify(CLI::App& program, const Settings& settings, Action& chosen);
void defineSpeedDial(CLI::App& program, const Settings& settings, Action& chosen);
void defineGroup(CLI::App& program, const Settings& settings, Action& chosen);
void defineCategory(CLI::App& program, const Settings& settings, Action& chosen);
void defineCall(CLI::App& program, const Settings& settings, Action& chosen);
void defineCheck(CLI::App& program, const Settings& settings, Action& chosen);
void defineBackup(CLI::App& program, const Settings& settings, Action& chosen);
void defineRecover(CLI::App& program, const Settings& settings, Action& chosen);
void defineWatch(CLI::App& program, const Settings& settings, Action& chosen);

}  // namespace Tool
