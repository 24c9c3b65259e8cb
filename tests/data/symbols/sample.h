inline int Twice(int number) {
    volatile int twice = number;
    twice = twice + number;
    return twice;
}
