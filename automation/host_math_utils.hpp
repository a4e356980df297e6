#pragma once

#include <memory>

#include "automation/interface.hpp"
#include "automation/reference.hpp"
#include "vorquill21/numeric/math_utils.hpp"

namespace vorquill21::automation {

/// The array utilities of an interpolation, made by the host: ArrayLocate, the one that interpolations use,
/// is the host's, called by name; all others are the library's.
class HostMathUtils final : public CMathUtils {
 public:
  explicit HostMathUtils(Reference<IDispatch> host) : host_(std::move(host)) {}

  bool ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const override;

 private:
  Reference<IDispatch> host_;
};

/// Array utilities of the library and the object that they are for hosts.
struct HostObject {
  std::shared_ptr<CMathUtils> core;
  Reference<IDispatch> object;
};

/// The core of `host`, which keeps the object alive and remembers it.
std::shared_ptr<CMathUtils> WithHostObject(HostObject host);

/// What WithHostObject was given, or null for any other utilities.
const HostObject* HostObjectOf(const std::shared_ptr<CMathUtils>& utils) noexcept;

}  // namespace vorquill21::automation
