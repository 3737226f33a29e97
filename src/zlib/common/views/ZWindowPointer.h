// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZMessage;
class ZView;

/// Routes the mouse messages of a window: to the view that holds the capture, else through the root
/// view to the one below the pointer. It knows which view the pointer is over. Views are not owned.
/// [interface thread, with the interface lock]
class ZWindowPointer
{
public:
    /// root is the window's root view and lives as long.
    explicit ZWindowPointer(ZView& root);

    /// Sends a press, a double click or a release on; pointField names the point's field. Throws
    /// ZException kGeneral when a field is missing.
    void RouteClick(const ZMessage& message, const char* pointField);
    /// Sends ZMOUSELEFT and ZMOUSEENTERED where the pointer has come over another view, then the
    /// move itself. Throws as RouteClick.
    void RouteMove(const boost::shared_ptr<const ZMessage>& message);
    /// Tells the view below the pointer that the pointer has left; the next move enters it anew.
    void LeaveHover();

    [[nodiscard]] ZView* GetCaptured() const { return mCaptured; }
    void SetCaptured(ZView* view) { mCaptured = view; }
    [[nodiscard]] ZView* GetHover() const { return mHover; }
    void SetHover(ZView* view) { mHover = view; }

private:
    void SendToCaptured(const ZMessage& message, const char* pointField);
    void UpdateHover(const ZPoint& point);

    ZView& mRoot;
    ZView* mCaptured = nullptr;
    ZView* mHover = nullptr;
};

}  // namespace orvane
