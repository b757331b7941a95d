#include <stdio.h>
enum { n = 200 };
static double A[n][n], B[n][n], C[n][n];
int main(void) {
  for (int i = 0; i < n; ++i) for (int j = 0; j < n; ++j) A[i][j] = 1.0/(i + j + 2), B[i][j] = 1.0/(i + 2*j + 3);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) {
      double s = 0;
      for (int k = 0; k < n; ++k) s += A[i][k]*B[k][j];
      C[i][j] = s;
    }
  printf("%.16g\n", C[n - 1][n - 1]);
}
