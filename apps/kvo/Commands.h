// The command groups, one file each. Each adds its commands to the command line.
#pragma once

#include "apps/kvo/CommandLine.h"

namespace kvo {

void AddWriteCommands(CommandLine& line);    // save, publish
void AddInspectCommand(CommandLine& line);   // inspect
void AddCheckCommand(CommandLine& line);     // check
void AddEditCommands(CommandLine& line);     // new, set
void AddCompareCommands(CommandLine& line);  // diff, merge
void AddLanguageCommand(CommandLine& line);  // lsp
void AddClassesCommand(CommandLine& line);   // classes
void AddPictureCommand(CommandLine& line);   // picture
void AddPreviewCommand(CommandLine& line);   // preview
void AddAdoptCommand(CommandLine& line);     // adopt
void AddPagesCommand(CommandLine& line);     // pages
void AddScriptCommand(CommandLine& line);    // script
void AddRefsCommand(CommandLine& line);      // refs
void AddRenameCommand(CommandLine& line);    // rename

}  // namespace kvo
