// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBuffer;
class ZXMLElement;

// The archive of a sample buffer: a tag "buffer" with name, length and sample rate, and in it a tag
// "data" with the samples, bit for bit. None of these functions is for the audio thread.

/// What becomes of a buffer whose archive holds another number of samples.
enum class ZBufferLength
{
    kFixed,           // it is refused
    kFollowsArchive,  // it is resized
};

/// Samples that the attribute of an archive has room for.
[[nodiscard]] std::uint32_t maxArchivedSamples();

/// The archive of a buffer that nobody writes to meanwhile. Throws ZException -1 when it is longer
/// than maxArchivedSamples.
[[nodiscard]] boost::shared_ptr<ZXMLElement> extractBuffer(const ZBuffer& buffer);

/// A buffer as the archive tells it. Throws ZException: -1 for a length that is no number of
/// samples, and when the samples are not all there, which is found before memory is asked for; 2
/// when there is no memory.
[[nodiscard]] std::unique_ptr<ZBuffer> makeBuffer(const ZXMLElement& xml);

/// Takes over samples and sample rate, and the archive's tag as the name: all of it or, throwing
/// ZException as makeBuffer does and for a length that does not fit, nothing.
void restoreBuffer(const ZXMLElement& xml, ZBuffer& buffer, ZBufferLength length);

}  // namespace orvane
