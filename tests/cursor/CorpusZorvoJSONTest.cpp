// Real files written by others: every class that yields features gives a ZorvoJSON document that
// parses. Skipped when the corpus is not beside the project.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "cursor/FeatureTestSupport.h"
#include "cursor/ZorvoJSONTestSupport.h"
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG;

TEST(CorpusZorvoJSONTest, EveryReadableClassGivesAValidDocument) {
    const std::filesystem::path corpus = std::filesystem::path(ZDSG_CORPUS_DIR) / "pocean" / "dsg";
    if (!std::filesystem::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus at " << corpus;
    }
    int cDocuments = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() != ".nc") {
            continue;
        }
        SCOPED_TRACE(entry.path().string());
        std::shared_ptr<BasicFeatureClass> featureClass;
        try {
            featureClass = feature_test::OpenClass(entry.path());
        } catch (const Exception&) {
            continue;  // refused files are the feature-class tests' business
        }
        std::ostringstream out;
        try {
            ZorvoJSONFeatureSet::s_Stream(*featureClass, out);
        } catch (const std::exception& e) {
            // Classes whose cursor cannot read them give no document; say which.
            std::cout << entry.path().filename().string() << ": no document: " << e.what() << '\n';
            continue;
        }
        const rapidjson::Document document = zorvojson_test::Parse(out.str());
        ASSERT_TRUE(document.IsObject());
        if (featureClass->FeatureType() != eFeaturePoint) {
            EXPECT_EQ(document["features"].Size(), featureClass->cFeatures());
        }
        ++cDocuments;
    }
    std::cout << cDocuments << " documents\n";
    EXPECT_GT(cDocuments, 0);
}
