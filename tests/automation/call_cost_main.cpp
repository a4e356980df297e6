// What a call of the component costs beside its peer: a call by name beside the system's own
// ITypeInfo::Invoke, and a call through the table with a large array beside the library's function. Prints
// the least times and their ratio; with --check it fails when a ratio is above what it must be.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "tests/automation/component.hpp"
#include "vorquill21/numeric/statistics.hpp"

namespace vorquill21::test {
namespace {

constexpr int kRounds = 101;

/// Nanoseconds for one of `count` calls.
double TimeOf(const std::function<void()>& call, int count) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) call();
  const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / count;
}

/// The least time is the one that the rest of the machine disturbed least.
double Least(const std::vector<double>& times) {
  return *std::min_element(times.begin(), times.end());
}

/// Both in turns, so that what else the machine does falls on both.
bool Compare(const char* job, const char* peerName, int count, double must, const std::function<void()>& ours,
             const std::function<void()>& peer) {
  std::vector<double> ourTimes;
  std::vector<double> peerTimes;
  for (int round = 0; round < kRounds; ++round) {
    ourTimes.push_back(TimeOf(ours, count));
    peerTimes.push_back(TimeOf(peer, count));
  }
  const double ratio = Least(ourTimes) / Least(peerTimes);
  std::printf("| %s | %s | %.4g | %.4g | %.2f | %.2f |\n", job, peerName, Least(ourTimes), Least(peerTimes),
              ratio, must);
  return ratio <= must;
}

bool CompareCallByName() {
  const auto utilities = VORQUILL21_MAKE(CMathUtils);
  Reference<ITypeInfo> type;
  utilities->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Receive());
  const DISPID member = MemberNamed(utilities.Get(), L"DWordGetHighWord");
  Value argument = 0x12345678;
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  VARIANT result{};
  LONG sum = 0;
  const auto ours = [&] {
    utilities->Invoke(member, kReserved, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, &result, nullptr,
                      nullptr);
    sum += result.lVal;
  };
  const auto peer = [&] {
    type->Invoke(utilities.Get(), member, DISPATCH_METHOD, &arguments, &result, nullptr, nullptr);
    sum -= result.lVal;
  };
  const bool holds = Compare("`DWordGetHighWord` called by name", "ITypeInfo::Invoke", 2000, 2.0, ours, peer);
  return holds && sum == 0;
}

bool CompareArrayArgument() {
  constexpr ULONG kCount = 1'000'000;
  const auto statistics = VORQUILL21_MAKE(CStatistics);
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, kCount);
  auto* const values = static_cast<double*>(array->pvData);
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(20.0, 3.0);
  std::generate(values, values + kCount, [&] { return normal(random); });
  double ofComponent = 0;
  double ofLibrary = 0;
  const CStatistics library;
  const auto ours = [&] { statistics->ArithmeticMean(&array, &ofComponent); };
  const auto peer = [&] { ofLibrary = library.ArithmeticMean({values, kCount}); };
  const bool holds =
      Compare("`ArithmeticMean` of 1,000,000 values through the table", "the library's", 1, 1.05, ours, peer);
  SafeArrayDestroy(array);
  return holds && ofComponent == ofLibrary;
}

}  // namespace
}  // namespace vorquill21::test

int main(int count, char** arguments) {
  const bool isChecking = count == 2 && std::strcmp(arguments[1], "--check") == 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  std::puts("| job | peer | ours, ns | peer, ns | ours / peer | must |\n|---|---|---:|---:|---:|---:|");
  const bool namesHold = vorquill21::test::CompareCallByName();
  const bool arraysHold = vorquill21::test::CompareArrayArgument();
  return isChecking && !(namesHold && arraysHold) ? 1 : 0;
}
