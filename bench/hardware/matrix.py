def main(n):
    def fill(p): return [[1/(i + p*j) for j in range(1, n + 1)] for i in range(1, n + 1)]
    A, B, C = fill(1), fill(2), []
    for i in range(n):
        row, out = A[i], []
        for j in range(n):
            s = 0.0
            for k in range(n): s += row[k]*B[k][j]
            out.append(s)
        C.append(out)
    print(C[n - 1][n - 1])
main(200)
