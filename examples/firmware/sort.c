// Sorting with a comparison function: insertion for short stretches, quicksort above.
#include "firmware.h"

int Ascending(int32_t a, int32_t b) { return (a > b) - (a < b); }
int Descending(int32_t a, int32_t b) { return Ascending(b, a); }
int ByMagnitude(int32_t a, int32_t b) { return Ascending(FixedAbs(a), FixedAbs(b)); }

static void Swap(int32_t* a, int32_t* b) {
  int32_t kept = *a;
  *a = *b;
  *b = kept;
}

void InsertionSort(int32_t* values, int32_t count, Compare compare) {
  for (int32_t i = 1; i < count; ++i) {
    int32_t value = values[i];
    int32_t place = i;
    for (; place > 0 && compare(values[place - 1], value) > 0; --place) values[place] = values[place - 1];
    values[place] = value;
  }
}

void QuickSort(int32_t* values, int32_t low, int32_t high, Compare compare) {
  if (high - low < 8) {
    if (high > low) InsertionSort(values + low, high - low + 1, compare);
    return;
  }
  int32_t pivot = values[low + (high - low) / 2];
  int32_t left = low;
  int32_t right = high;
  while (left <= right) {
    while (compare(values[left], pivot) < 0) ++left;
    while (compare(values[right], pivot) > 0) --right;
    if (left <= right) Swap(&values[left++], &values[right--]);
  }
  QuickSort(values, low, right, compare);
  QuickSort(values, left, high, compare);
}

bool IsSorted(const int32_t* values, int32_t count, Compare compare) {
  for (int32_t i = 1; i < count; ++i)
    if (compare(values[i - 1], values[i]) > 0) return false;
  return true;
}
