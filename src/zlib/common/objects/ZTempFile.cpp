// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZTempFile.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZSystemServices.h"

#include <boost/make_shared.hpp>

#include <string>

namespace orvane
{

namespace
{

std::string systemTempFolder()
{
    const auto folder = ZNativeFile::GetTempFolder();
    if (!folder)
        throw ZException("Unable to GetTempPath.");
    return *folder;
}

/// The end of the file name; the extension may have its dot or not.
std::string suffixOf(const std::string& extension)
{
    return extension.starts_with('.') ? extension : "." + extension;
}

}  // namespace

void MakeTempFile(const boost::shared_ptr<ZString>& folder,
                  const boost::shared_ptr<ZString>& prefix,
                  const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out)
{
    const std::string where = folder ? folder->ToNarrow() : systemTempFolder();
    const ZString ending = extension ? *extension : ZString();
    // Made with its final name: between making and renaming another program could take that name.
    const auto path = ZNativeFile::MakeUnique(where, prefix ? prefix->ToNarrow() : "sop",
                                              suffixOf(ending.ToNarrow()));
    if (!path)
        throw ZException("Unable to GetTempFileName.");
    try {
        out = boost::make_shared<ZFile>("tempfile", *path, ending);
        out->SetDeleteOnClose(true);
        out->Open(ZFile::kModeRead, true);
    } catch (const ZException&) {
        ShowMessageBox(ZMessageBox::kNotice, false, "File Open", "Problem when opening temp file");
    }
}

void MakeTempFile(const boost::shared_ptr<ZString>& extension, boost::shared_ptr<ZFile>& out)
{
    MakeTempFile(nullptr, nullptr, extension, out);
}

}  // namespace orvane
