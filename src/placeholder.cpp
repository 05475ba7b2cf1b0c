namespace {}  // Keeps the library non-empty.
