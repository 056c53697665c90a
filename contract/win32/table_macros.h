// Helpers for unfolding the contract's tables, whose rows carry their parameters and arguments in
// parentheses.
#pragma once

/// The list and a comma after it, nothing for an empty list: `COMMA_AFTER params`.
#define COMMA_AFTER(...) __VA_OPT__(__VA_ARGS__, )

/// The list and a comma before it, nothing for an empty list: `COMMA_BEFORE args`.
#define COMMA_BEFORE(...) __VA_OPT__(, ) __VA_ARGS__
