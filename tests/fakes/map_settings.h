#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "settings/settings.h"

namespace kelvane::fakes {

/// A settings store in memory. Stores made over the same `Hive` see each other's values.
class MapSettings : public SettingsStore {
 public:
  using Hive =
      std::map<std::string, std::map<std::string, std::variant<std::int32_t, std::string>>>;

  MapSettings(std::shared_ptr<Hive> hive, std::string instance)
      : hive_(std::move(hive)), instance_(std::move(instance)) {}
  explicit MapSettings(std::string instance = "Kelvane")
      : MapSettings(std::make_shared<Hive>(), std::move(instance)) {}

  std::int32_t number(std::string_view name, std::int32_t fallback) const override {
    return read(name, fallback);
  }
  std::string text(std::string_view name, const std::string& fallback) const override {
    return read(name, fallback);
  }
  bool writeNumber(std::string_view name, std::int32_t value) override {
    return write(name, value);
  }
  bool writeText(std::string_view name, const std::string& value) override {
    return write(name, value);
  }
  bool erase() override {
    const bool base = !hive_->empty();
    hive_->erase(instance_);
    return base;
  }

  /// Values of this name cannot be written any more.
  void refuseWritesTo(std::string name) { refused_ = std::move(name); }
  const Hive& hive() const { return *hive_; }

 private:
  template <class T>
  T read(std::string_view name, const T& fallback) const {
    const auto key = hive_->find(instance_);
    if (key == hive_->end()) return fallback;
    const auto value = key->second.find(std::string(name));
    if (value == key->second.end()) return fallback;
    const T* held = std::get_if<T>(&value->second);
    return held ? *held : fallback;
  }
  template <class T>
  bool write(std::string_view name, const T& value) {
    if (name == refused_) return false;
    (*hive_)[instance_][std::string(name)] = value;
    return true;
  }

  std::shared_ptr<Hive> hive_;
  std::string instance_;
  std::string refused_;
};

}  // namespace kelvane::fakes
