// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class AudioEffect;

/// Deletes an effect whose host has closed it while the calling thread still stands in its code: on
/// a thread of its own, so that all happens as if the host had closed it on another thread, which
/// waits until the effect's calls of the host are back. The library is not unloaded, nor does the
/// process end, before such a thread is done; one whose call of the host does not come back is left
/// behind. Throws ZException -1 when there can be no more threads; then the effect stays.
/// [any thread but the audio thread]
void deleteDeferred(AudioEffect* effect);

}  // namespace orvane
