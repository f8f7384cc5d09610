// Creates the application object that Qt's event loop needs in a test program.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>

namespace {

class EventLoop : public ::testing::Environment {
public:
    void SetUp() override {
        static int count = 1;
        static char name[] = "vesk-tests";
        static char* arguments[] = {name, nullptr};
        application_ = std::make_unique<QCoreApplication>(count, arguments);
    }
    void TearDown() override { application_.reset(); }

private:
    std::unique_ptr<QCoreApplication> application_;
};

const ::testing::Environment* const registered = ::testing::AddGlobalTestEnvironment(new EventLoop);

}  // namespace
