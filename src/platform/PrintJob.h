#pragma once

class QPagedPaintDevice;

/// Something that is being printed, to a printer or into a file.
class PrintJob
{
public:
    virtual ~PrintJob() = default;

    /// Where to paint; copies and orientation are set as the user chose them.
    virtual QPagedPaintDevice &device() = 0;

    /// Ends the document, after the last painter has ended. Throws RunTimeError when it could not be
    /// printed; a job that is destroyed without it leaves no file behind.
    virtual void finish() = 0;
};
