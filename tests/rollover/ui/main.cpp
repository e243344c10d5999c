#include "ui/main.cpp"
