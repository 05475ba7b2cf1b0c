#pragma once

#include <cstdint>

#include "qal/view_client.h"

namespace coverage {

/// The workspace client that answers every notification with success and no action. UI thread only.
class CWSClient2 : public qal::IQWorkSpaceClient2 {
 public:
  qal::Status Notify7(std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify14(std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify25(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
    return qal::kOk;
  }
  qal::Status Notify29(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify30(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status OnSessionOpened(qal::WideText, qal::WideText, qal::WideText, qal::WideText) override {
    return qal::kOk;
  }
  qal::Status OnSessionSaving(qal::WideText, qal::WideText, qal::WideText) override { return qal::kOk; }
  qal::Status GetSessionValue(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uint32_t* value) override {
    *value = 0;
    return qal::kOk;
  }
  virtual ~CWSClient2() = default;
};

}  // namespace coverage
