// What every HTML report carries along: its style and its scripts, made at build time.
#pragma once

#include <string_view>

namespace genostat::standalone {

struct ReportAsset {
  std::string_view text;    // may stand inside its element as it is
  std::string_view policy;  // the source that names exactly this text in a Content-Security-Policy
};

struct ReportAssets {
  ReportAsset style;
  ReportAsset script;
  ReportAsset charts;  // the chart library and what draws the charts; only reports with charts need it
};

const ReportAssets& reportAssets();

}  // namespace genostat::standalone
