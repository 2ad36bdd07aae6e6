#pragma once

#include "Core/CApplication.h"
#include "Core/CLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tsm {

inline void PrintTo(const CString& text, std::ostream* out)
{
    *out << '"' << text.toUtf8() << '"';
}

inline void PrintTo(const CError& error, std::ostream* out)
{
    for (int i = 0; i < error.getLineCount(); ++i)
        *out << "\n    " << error.getLine(i).toUtf8();
}

/// Takes an error and gives its lines; empty for success.
inline std::vector<std::string> takeLines(CError* error)
{
    const CPtr<CError> owned(error);
    std::vector<std::string> lines;
    for (int i = 0; owned && i < owned->getLineCount(); ++i)
        lines.push_back(owned->getLine(i).toUtf8());
    return lines;
}

/// Takes an error and gives its message; empty for success.
inline std::string takeMessage(CError* error)
{
    const auto lines = takeLines(error);
    return lines.empty() ? std::string() : lines.front();
}

#define EXPECT_OK(call) EXPECT_THAT(::tsm::takeLines(call), ::testing::IsEmpty())
#define ASSERT_OK(call) ASSERT_THAT(::tsm::takeLines(call), ::testing::IsEmpty())
#define EXPECT_FAILS_WITH(call, message) EXPECT_EQ(::tsm::takeMessage(call), message)

/// Collects what is logged while it lives.
class CLogCollector {
public:
    CLogCollector()
    {
        setLogSink(
            [](const CString& text, bool, void* user) {
                static_cast<CLogCollector*>(user)->lines.push_back(text.toUtf8());
            },
            this);
    }
    ~CLogCollector() { setLogSink(nullptr); }
    std::vector<std::string> lines;
};

/// An application with creators of the test's own, a shared tree and one instance tree.
class ATree : public ::testing::Test {
protected:
    /// Starts the application; an empty document name gives an empty shared tree.
    void start(std::initializer_list<CCreatorRow> creators, const char* document = "")
    {
        application = std::make_unique<CApplication>();
        ASSERT_OK(application->start(creators.begin(), static_cast<int>(creators.size()), nullptr,
                                     document));
        ASSERT_OK(application->initRootObject(root, CString()));
    }
    void TearDown() override
    {
        root.reset();
        application.reset();
    }
    /// A child of class `T`, through all its stages.
    template <class T = CObject>
    T& make(CObject& parent, const char* tag, const char* name)
    {
        T* child = nullptr;
        EXPECT_OK(parent.createChild(child, tag, name, false));
        return *child;
    }

    std::unique_ptr<CApplication> application;
    CTreePtr<CObject> root;
};

} // namespace tsm
