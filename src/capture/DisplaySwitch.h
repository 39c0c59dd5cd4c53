#pragma once

#include "platform/DisplayModes.h"
#include "platform/Prompter.h"
#include "platform/UserSettings.h"
#include "state/Module1.h"

#include <memory>

class QLockFile;

/// Offers to make a large display 800 x 600 for the capture, and makes it large again afterwards: at the end
/// of the run or of the program, also when that is ended by a signal, and at the next start when it has died.
///
/// Who owes the display its size holds a lock; what is owed is kept in the user's settings, section
/// "Display": "resolutionX" and "resolutionY" (the size; "0": nothing is owed), "restartAwaited" ("1": the
/// switch has asked for a new start, which is going to owe it).
class DisplaySwitch
{
public:
    struct Services {
        Module1 &state;
        DisplayModes &modes;
        UserSettings &settings;
        Prompter &prompter;
        QString lockFolder; ///< writable; for the lock
    };

    explicit DisplaySwitch(const Services &services);
    ~DisplaySwitch();
    DisplaySwitch(const DisplaySwitch &) = delete;
    DisplaySwitch &operator=(const DisplaySwitch &) = delete;

    /// At the start of the program: takes over what the start before it has left to this one, and makes the
    /// display large again if the program that should have done so has died. A program that is still running
    /// is left alone.
    void settle();

    /// The offer. True: the display was switched, and the program must end at once, without asking anybody,
    /// to be started again by the user. Without a mode of 800 x 600 nothing is offered. A display that
    /// refuses it, and settings that cannot be written, are told about, and nothing is owed.
    bool OfferDisplaySwitch();

    /// True on success. A display that wants a restart is asked about, one that refuses is told about.
    bool SetDisplayMode(int width, int height);

    /// Makes the display large again where that is owed, with a message unless there shall be few.
    void RestoreDisplay();

    /// The same in a hurry, without any message; for a program that is being ended.
    void restoreSilently();

private:
    bool owed() const;
    QSize storedSize() const;
    bool remember(QSize size);
    bool takeLock();
    void settled();

    Services m_services;
    std::unique_ptr<QLockFile> m_lock;
    bool m_toldOfSettings = false;
};
