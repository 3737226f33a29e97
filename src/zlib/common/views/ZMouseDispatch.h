// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZMessage;
class ZView;

/// Passes ZMOUSEDOWN, ZMOUSEDOUBLECLICK, ZMOUSEUP, ZMOUSEMOVED or ZMOUSEWHEEL to the child on top
/// at the message's point, in that child's coordinates, or calls the view's own operation.
/// ZMOUSEENTERED and ZMOUSELEFT are the view's own. Throws ZException kGeneral when a field is
/// missing. [interface thread]
void dispatchMouse(ZView& view, const ZMessage& message);

}  // namespace orvane
