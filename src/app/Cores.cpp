#include "app/Cores.h"

Cores::Cores(Module1 &state, Platform &platform, Prompter &prompter, Workspace &workspace, CaptureView &view,
             Progress &progress, DisplaySwitch &display)
    : database(*platform.database, state, prompter), directories(state, database, prompter),
      grabbing(state, *platform.screen),
      snapshots({state, *platform.screen, *platform.clock, *platform.sound, prompter, view}, grabbing),
      marker(state, *platform.screen), registration({state, prompter, database, marker, progress}),
      run({state, *platform.inputHook, *platform.clock, prompter, workspace, view, database, directories,
           registration, display},
          grabbing, snapshots),
      delayedShot({state, *platform.screen, *platform.sound, prompter, workspace, *platform.programs},
                  grabbing),
      regionShot({state, *platform.screen, *platform.sound, *platform.clock, *platform.inputHook, prompter,
                  workspace, *platform.programs},
                 snapshots),
      projects({state, database, directories, prompter, workspace, *platform.programs, *platform.clock}),
      documentServices{state,
                       database,
                       directories,
                       prompter,
                       workspace,
                       progress,
                       *platform.wordProcessor,
                       *platform.programs},
      documents(documentServices), hotKeys(*platform.hotKeys)
{
}
