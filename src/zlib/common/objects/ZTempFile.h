// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFile.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

/// Makes an empty file with a unique name and opens it for reading. The destructor of its ZFile
/// deletes it. A null folder means the system's temporary folder, a null prefix means "sop". Throws
/// ZException, with out unchanged, when there is no folder or the file cannot be made. Shows a
/// message box when the file cannot be opened. [interface thread]
void MakeTempFile(const boost::shared_ptr<ZString>& folder,
                  const boost::shared_ptr<ZString>& prefix,
                  const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out);
/// The same in the system's temporary folder, with the prefix "sop". [interface thread]
void MakeTempFile(const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out);

}  // namespace orvane
