#include <stdio.h>
__attribute__((noinline)) static double f(double x, double y) { return x/2 + y; }
int main(void) {
  double s = 0;
  for (int i = 1; i <= 1000000; ++i) s = f(s, i);
  printf("%.16g\n", s);
}
