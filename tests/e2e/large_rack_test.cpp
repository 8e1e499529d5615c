// A full rack of 32 units: every page renders without an error, and the plain and the
// sanitized builds print the same bytes.
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace cambioip_test;

namespace {

// The demo rack's six other units, copied again and again under new addresses until the
// rack holds 32 units with the master.
void buildRack(const TempRoot &root)
{
    const fs::path demo = fs::path(CAMBIOIP_SOURCE_DIR) / "demo/root/config";
    root.copyConfig(demo);
    const char *units[] = {"021", "022", "031", "032", "041", "051"};
    for (int i = 0; i < 25; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "010.000.001.%03d", 100 + i);
        for (const char *kind : {"network", "sondeo"})
            fs::copy_file(demo / (std::string(kind) + ".010.000.000." + units[i % 6] + ".xml"),
                          root.config() / (std::string(kind) + "." + name + ".xml"));
    }
}

class LargeRack : public ::testing::TestWithParam<const char *> {};

TEST_P(LargeRack, RendersEveryUnitWithoutError)
{
    TempRoot root;
    buildRack(root);
    CgiResult r = runGet(root, GetParam());
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind(kHeader, 0), 0u);
    EXPECT_EQ(r.out.find("ERROR!"), std::string::npos) << r.out.substr(0, 2000);
    EXPECT_EQ(r.err.find("Sanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("runtime error"), std::string::npos) << r.err;
    EXPECT_NE(r.out.find("</body></html>\n"), std::string::npos);

#ifdef CAMBIOIP_REFERENCE_CGI
    // The sanitized build compares its page with the plain build's, byte for byte.
    if (fs::exists(CAMBIOIP_REFERENCE_CGI)) {
        CgiResult reference = runCgiProgram(CAMBIOIP_REFERENCE_CGI, root,
                                            {{{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", GetParam()}}, "", ""});
        EXPECT_EQ(r.out, reference.out);
    }
#endif
}

INSTANTIATE_TEST_SUITE_P(Pages, LargeRack,
                         ::testing::Values("command=1", "command=2", "command=3", "command=12", "command=13", "command=14",
                                           "command=15", "command=16", "command=10",
                                           "command=17"));

TEST(LargeRack, CountsEveryUnitOnTheListForTests)
{
    TempRoot root;
    buildRack(root);
    EXPECT_NE(runGet(root, "command=16").out.find("Set Configuration for all Units (32):"), std::string::npos);
}

}  // namespace
