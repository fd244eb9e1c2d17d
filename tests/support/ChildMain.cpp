#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>

#include <iostream>
#include <map>
#include <string_view>
#include <utility>

namespace {

std::map<std::string, std::function<int(const std::filesystem::path&)>>& Jobs() {
    static std::map<std::string, std::function<int(const std::filesystem::path&)>> jobs;
    return jobs;
}

} // namespace

ChildJob::ChildJob(const char* name, std::function<int(const std::filesystem::path&)> job) {
    Jobs().emplace(name, std::move(job));
}

int ChildJob::Run(const std::string& name, const std::filesystem::path& path) { return Jobs().at(name)(path); }

int main(int count, char** arguments) {
    if (count == 4 && std::string_view(arguments[1]) == "--job") return ChildJob::Run(arguments[2], arguments[3]);
    testing::InitGoogleMock(&count, arguments);
    return RUN_ALL_TESTS();
}
