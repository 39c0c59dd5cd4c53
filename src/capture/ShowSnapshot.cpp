#include "capture/ShowSnapshot.h"

void showSnapshot(Module1 &state, Workspace &workspace, ExternalPrograms &programs)
{
    switch (state.AppOptions.OptionFlags[PaintTool]) {
    case 0:
        state.ImageFileRequested = true;
        workspace.openViewer(ViewerSelection::CurrentImage);
        break;
    case 1:
        programs.paint(state.AppOptions.PaintProgram, state.CurrentImagePath);
        break;
    default:
        break;
    }
}
