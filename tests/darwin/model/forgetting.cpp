// After each test: what should have been released fails it, and the next one finds an empty model.

#include <gtest/gtest.h>

#include <sys/resource.h>

#include "darwin/model/core_foundation.h"
#include "darwin/model/files.h"
#include "darwin/model/processes.h"

namespace vesk::darwin {

// objective_c.h and appkit.h show Darwin's headers, which this file must not see.
void forgetObjects();
void forgetAppKit();

namespace {

class Forgetting : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo& /*test*/) override {
        // As launchd has it.
        rlimit descriptors{};
        getrlimit(RLIMIT_NOFILE, &descriptors);
        descriptors.rlim_cur = 256;
        setrlimit(RLIMIT_NOFILE, &descriptors);
    }
    void OnTestEnd(const ::testing::TestInfo& /*test*/) override {
        forgetObjects();
        forgetAppKit();
        forgetCoreFoundation();
        forgetFiles();
        setProcesses({});
    }
};

const bool isListening = (::testing::UnitTest::GetInstance()->listeners().Append(new Forgetting), true);

}  // namespace

}  // namespace vesk::darwin

extern "C" {

// vesk::testing::enterPrivateMounts() and privateMountsAreAllowed(): a Mac has no such thing.
bool __wrap__ZN4vesk7testing18enterPrivateMountsEv() {
    return false;
}
bool __wrap__ZN4vesk7testing23privateMountsAreAllowedEv() {
    return false;
}

}  // extern "C"
