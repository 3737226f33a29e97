// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFile.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

/// Makes an empty file of a unique name and opens it for reading; it is deleted with its last
/// ZFile. A null folder stands for the system's temporary folder, a null prefix for "sop".
/// Raises code -1, with out as it was, when there is no folder or the file cannot be made. A
/// failure to open it shows a message box. [interface thread]
void MakeTempFile(const boost::shared_ptr<ZString>& folder,
                  const boost::shared_ptr<ZString>& prefix,
                  const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out);
void MakeTempFile(const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out);

}  // namespace orvane
