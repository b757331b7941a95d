#include <stdio.h>
#include <stdlib.h>
int main(int argc, char** argv) {
  int n = argc > 1 ? atoi(argv[1]) : 400;
  double total = 0;
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) {
      double cx = -2 + 3.0*i/n, cy = -1.5 + 3.0*j/n, x = 0, y = 0;
      int k = 1;
      for (; k <= 100 && x*x + y*y <= 4; ++k) {
        double t = x*x - y*y + cx;
        y = 2*x*y + cy;
        x = t;
      }
      total += k;
    }
  printf("%.16g\n", total);
}
