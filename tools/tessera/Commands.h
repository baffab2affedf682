#pragma once

#include <functional>

#include "Failure.h"
#include "Settings.h"

namespace Tool {

class Command;
struct CommandText;

/// Runs the command that the command line chose.
using Action = std::function<ExitStatus()>;

// Each adds a command, with its options, to the program; parsing it sets `chosen`. The settings are read
// when the action runs, not before.

void defineInit(Command& program, const Settings& settings, Action& chosen);
void defineImport(Command& program, const Settings& settings, Action& chosen);
void defineAdd(Command& program, const Settings& settings, Action& chosen);
void defineEdit(Command& program, const Settings& settings, Action& chosen);
void defineDelete(Command& program, const Settings& settings, Action& chosen);
void defineExport(Command& program, const Settings& settings, Action& chosen);
void defineShow(Command& program, const Settings& settings, Action& chosen);
void defineList(Command& program, const Settings& settings, Action& chosen);
void defineSearch(Command& program, const Settings& settings, Action& chosen);
void defineNumber(Command& program, const Settings& settings, Action& chosen);
void defineIdentify(Command& program, const Settings& settings, Action& chosen);
void defineSpeedDial(Command& program, const Settings& settings, Action& chosen);
void defineGroup(Command& program, const Settings& settings, Action& chosen);
void defineCategory(Command& program, const Settings& settings, Action& chosen);
void defineCall(Command& program, const Settings& settings, Action& chosen);
void defineCheck(Command& program, const Settings& settings, Action& chosen);
void defineBackup(Command& program, const Settings& settings, Action& chosen);
void defineRecover(Command& program, const Settings& settings, Action& chosen);
void defineCandidates(Command& program, const Settings& settings, Action& chosen);
void defineWatch(Command& program, const Settings& settings, Action& chosen);

}  // namespace Tool
