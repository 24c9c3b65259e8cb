// The day on which a zone changes its clocks in a year.
#pragma once

#include "platform/time_zone.h"

namespace tvut {

// The date and local time at which a rule has its change in a year; the day of the week is left open.
//
// A month of 0 is no change at all and stays as it is, year included. A rule that has a year of its own
// stands for the same month, day and time in every year; so does one whose month there is not. Otherwise
// the day counts the weekday's occurrences in the month: 0 and 1 are the first, 5 is the last whether the
// month has four or five. One above 5 counts on past the month's end and stands for the day of the month that
// it comes to, in the rule's month all the same: what the system then refuses is no change.
scDateTime UtilpTransitionInYear(const scDateTime& rule, std::uint16_t year) noexcept;

} // namespace tvut
