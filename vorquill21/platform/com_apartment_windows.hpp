#pragma once

namespace vorquill21 {

/// Lets the calling thread use components for as long as this object lives. A thread that is in an apartment
/// already stays in it as it is; any other is in one of its own only meanwhile.
class ComApartment {
 public:
  ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  ~ComApartment();

 private:
  bool entered_ = false;
};

}  // namespace vorquill21
