// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class AudioEffect;

/// Deletes an effect on a thread of its own, as soon as no call of the host by the effect is in
/// progress. For a host that sends effClose from inside such a call: the calling thread still
/// executes code of the effect below that call and must return from it first.
///
/// The library stays loaded and the process stays alive until the deletion is done. At exit a
/// deletion that still waits for the host after 250 ms is abandoned.
/// effect is not null. Throws ZException when no thread can be started; the effect then lives
/// on. [any thread but the audio thread]
void deleteDeferred(AudioEffect* effect);

}  // namespace orvane
