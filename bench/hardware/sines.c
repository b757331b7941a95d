#include <math.h>
#include <stdio.h>
int main(void) {
  double s = 0;
  for (int i = 1; i <= 1000000; ++i) s += sin(i);
  printf("%.16g\n", s);
}
