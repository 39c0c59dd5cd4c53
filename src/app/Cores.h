#pragma once

#include "capture/CaptureRun.h"
#include "capture/DelayedShot.h"
#include "capture/mHotKey.h"
#include "capture/RegionShot.h"
#include "documents/DocumentGeneration.h"
#include "pagestore/ProjectCommands.h"
#include "platform/RealPlatform.h"

/// The cores of the program, put together for one main window. Members are made in the order in which they
/// need one another; everything referred to must outlive this.
struct Cores {
    Cores(Module1 &state, Platform &platform, Prompter &prompter, Workspace &workspace, CaptureView &view,
          Progress &progress, DisplaySwitch &display);

    PageDatabase database;
    ProjectDirectories directories;
    ScreenGrabbing grabbing;
    SnapshotFiles snapshots;
    PointerMarker marker;
    RunRegistration registration;
    CaptureRun run;
    DelayedShot delayedShot;
    RegionShot regionShot;
    ProjectCommands projects;
    DocumentServices documentServices;
    DocumentGeneration documents;
    mHotKey hotKeys;
};
