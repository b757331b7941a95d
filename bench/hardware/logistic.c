#include <stdio.h>
#include <stdlib.h>
int main(int argc, char** argv) {
  double r = argc > 1 ? atof(argv[1]) : 3.9, x = 0.5;
  for (int i = 1; i <= 20000000; ++i) x = r*x*(1 - x);
  printf("%.16g\n", x);
}
