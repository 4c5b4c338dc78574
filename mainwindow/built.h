#pragma once

#include <algorithm>
#include <array>

namespace quillary {

// What the buttons and menus of the main window offer.
enum class Feature {
  New,
  Filter,
  TipOfDay,
  About,
  Copy,
  CopyAndPaste,
  Dial,
  Edit,
  Delete,
  Exchange,
  Reports,
  Import,
  BackUp,
  RestoreDeleted,
  SwitchView,
  Find,
  Setup,
};

// The features that this version has. The controls of the others are there but stay disabled.
inline constexpr std::array Built{
    Feature::New,        Feature::Filter, Feature::TipOfDay, Feature::About,
    Feature::Copy,       Feature::Edit,   Feature::Delete,   Feature::Exchange,
    Feature::Reports,    Feature::Import, Feature::BackUp,   Feature::RestoreDeleted,
    Feature::SwitchView, Feature::Find,   Feature::Setup,    Feature::Dial, Feature::CopyAndPaste,
};

constexpr bool IsBuilt(Feature feature) {
  return std::find(Built.begin(), Built.end(), feature) != Built.end();
}

}  // namespace quillary
