namespace kivo {}
