#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace Tool::port {

/// A moment as the user's clock shows it. Nothing for one that no clock shows.
std::optional<std::tm> localTimeOf(std::time_t moment);

/// The moment at which the user's clock shows this; only the civil date and time are looked at.
std::optional<std::time_t> momentOfLocalTime(std::tm local);

/// The time of day as the user's locale writes it; empty where the system does not know the locale.
std::string timeInUserLocale(const std::tm& local);

}  // namespace Tool::port
