// Commands of the host's editor.
#pragma once

namespace cadhost {

class CommandStack;
void DefineEditorCommands(CommandStack& commands);

}  // namespace cadhost
