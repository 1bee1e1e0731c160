#pragma once

/// How often the calling thread has allocated with `new` so far.
int allocationCount() noexcept;
