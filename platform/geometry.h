#pragma once

/// Points and rectangles in pixels; right and bottom edges lie outside. Plain data.
namespace platform {

struct Point {
  int x = 0;
  int y = 0;
  friend constexpr bool operator==(const Point&, const Point&) = default;
};

struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  constexpr int Width() const { return right - left; }
  constexpr int Height() const { return bottom - top; }
  constexpr bool Empty() const { return right <= left || bottom <= top; }
  constexpr bool Contains(Point p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
  friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace platform
