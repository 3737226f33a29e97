#include "zlib/common/ZTempFile.h"

#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"

#include <gtest/gtest.h>

#include <string>

#include <boost/make_shared.hpp>

namespace orvane
{

namespace
{

boost::shared_ptr<ZString> shared(const std::string& text)
{
    return boost::make_shared<ZString>(text);
}

}  // namespace

TEST(ZTempFileTest, StandsInTheTemporaryFolderUntilItsObjectGoes)
{
    const PrivateFolder folder;
    const EnvironmentVariable temporary("TMPDIR", folder.Path().c_str());
    boost::shared_ptr<ZFile> file;
    MakeTempFile(shared("xml"), file);
    ASSERT_NE(file, nullptr);
    const std::string path = file->GetPath().ToNarrow();
    EXPECT_TRUE(path.starts_with(folder.Path("sop")) && path.ends_with(".xml")) << path;
    EXPECT_EQ(folder.Count(), 1);
    file.reset();
    EXPECT_EQ(folder.Count(), 0);

    const auto missing = shared(folder.Path("missing"));
    expectZException(-1, "Unable to GetTempFileName.",
                     [&] { MakeTempFile(missing, nullptr, shared("xml"), file); });
    const EnvironmentVariable nowhere("TMPDIR", missing->ToNarrow().c_str());
    expectZException(-1, "Unable to GetTempPath.", [&] { MakeTempFile(shared("xml"), file); });
    EXPECT_EQ(file, nullptr);
}

}  // namespace orvane
