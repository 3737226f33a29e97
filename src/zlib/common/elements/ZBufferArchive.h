// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBuffer;
class ZXMLElement;

// The archive of a sample buffer: a tag "buffer" with name, length and sample rate that contains a
// tag "data" with the samples, bit for bit. [any thread but the audio thread]

/// How restoreBuffer treats an archive with another number of samples than the buffer has.
enum class ZBufferLength
{
    kFixed,           // refuses the archive
    kFollowsArchive,  // resizes the buffer
};

/// The number of samples that an attribute of an archive can hold.
[[nodiscard]] std::uint32_t maxArchivedSamples();

/// Writes a buffer that no thread changes meanwhile. Throws ZException kGeneral when it is longer
/// than maxArchivedSamples().
[[nodiscard]] boost::shared_ptr<ZXMLElement> extractBuffer(const ZBuffer& buffer);

/// Makes a buffer from an archive. Throws ZException: kGeneral for a length that is not above 0, or
/// when samples are missing, which is checked before memory is allocated; kOutOfMemory when there
/// is no memory.
[[nodiscard]] std::unique_ptr<ZBuffer> makeBuffer(const ZXMLElement& xml);

/// Takes samples, sample rate and name from an archive. Throws ZException as makeBuffer does, and
/// kGeneral for a length that does not fit; then the buffer stays as it was.
void restoreBuffer(const ZXMLElement& xml, ZBuffer& buffer, ZBufferLength length);

}  // namespace orvane
